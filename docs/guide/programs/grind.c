/* One pass of a grinder over the raised patch at 30 m. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400 };
static const float interval = 0.025F; /* m */

int main(void) {
    static float before[room], profile[room];
    static int32_t flags[room];
    const int samples = read_track("sample_road.csv", 1, before, room);
    memcpy(profile, before, sizeof profile);

    const tGrinderSetup grinder = {.WheelBase = 5.5F,
                                   .HeadPosition = 0.5F,
                                   .TandemSpread = 0.9F,
                                   .ShortWavelength = 0.3F,
                                   .MaxGrindingDepth_mm = 8.0F};
    const tGrindSpot spot = {.iNumPasses = 1,
                             .iDirection = {idx_grinddir_higher},
                             .xDepth_mm = {0.0F},
                             .iStart = 1000, /* 25 m */
                             .iEnd = 1520};  /* 38 m */
    tEvent event;
    if (grindsimu_dlldrv(interval, 1, samples, &grinder, &spot, profile, flags, &event) !=
        vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    float deepest = 0.0F;
    int ground = 0;
    for (int i = 0; i < samples; ++i) {
        const float cut = before[i] - profile[i];
        deepest = cut > deepest ? cut : deepest;
        ground += flags[i] != idx_grindflag_none;
    }
    printf("%.1f m ground, %.1f mm at the deepest place\n", (double)(interval * (float)ground),
           1000.0 * (double)deepest);
    return 0;
}
