/* The stretches that must be ground so that no moving IRI of the left track exceeds 2.5 m/km. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400 };
static const float interval = 0.025F; /* m */

int main(void) {
    static float profile[room];
    static int32_t flags[room];
    const int samples = read_track("sample_road.csv", 1, profile, room);

    const tGrinderSetup grinder = {.WheelBase = 5.5F,
                                   .HeadPosition = 0.5F,
                                   .TandemSpread = 0.9F,
                                   .ShortWavelength = 0.3F,
                                   .MaxGrindingDepth_mm = 8.0F};
    tMustGrindCfg search = {.iRideIndexType = idx_ridests_IRI,
                            .if250mmFilter = vialto_yes,
                            .xRideThreshold = 0.0025F,
                            .xSlideBaseLength = 7.62F,
                            .ib_grindopt = {vialto_yes, vialto_yes, vialto_yes},
                            .x_grindlength_min = 0.3F,
                            .x_grindgap_min = 0.3F};
    tEvent event;
    if (mustgrind_dlldrv(samples, interval, &search, &grinder, profile, flags, &event) !=
        vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    int first = 0, flagged = 0;
    for (int i = 0; i < samples; ++i) {
        if (flags[i] == idx_grindflag_none) {
            first = i + 1; /* where the next stretch may begin */
            continue;
        }
        ++flagged;
        const int ends = i + 1 == samples || flags[i + 1] == idx_grindflag_none;
        const float length = interval * (float)(i + 1 - first);
        if (ends && length > 3.0F) {
            printf("%6.2f m  %4.2f m long\n", (double)(interval * (float)first), (double)length);
        }
    }
    printf("with the shorter ones %.1f m to grind\n", (double)(interval * (float)flagged));
    return 0;
}
