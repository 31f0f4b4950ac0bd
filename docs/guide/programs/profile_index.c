/* The profile index of the right track, in lots of 40 m, and its highest defects. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400, wheel_pairs = 6, lots = 4, lot_length = 1600 /* samples */ };
static const float interval = 0.025F; /* m */
static const float wheels[wheel_pairs] = {1.905F, 2.286F, 2.667F, 3.048F, 3.429F, 3.81F};

static const float settings[idx_pgset_count] = {
    [idx_pgset_BlankingBand] = 2.54F,      /* mm */
    [idx_pgset_MinScallopWidth] = 0.6F,    /* m */
    [idx_pgset_MinScallopHeight] = 0.889F, /* mm */
    [idx_pgset_ScallopRound] = 1.27F,      /* mm */
};

int main(void) {
    static float profile[room], trace[room];
    const int samples = read_track("sample_road.csv", 2, profile, room);
    for (int i = 0; i < samples; ++i) {
        profile[i] *= 1000.0F; /* mm, as the settings */
    }
    int32_t first, last;
    tEvent event;
    if (pgfilt_dll(0, samples - 1, interval, wheel_pairs, samples, wheels, profile, trace, &first,
                   &last, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }

    tPGLot lot[lots];
    for (int i = 0; i < lots; ++i) {
        lot[i].iStart = first + i * lot_length;
        lot[i].iEnd = i + 1 < lots ? lot[i].iStart + lot_length : last;
    }
    static tPGDefect defects[vialto_i_PG_maxdefects];
    const int32_t no_bumps = 0;
    int32_t found;
    if (pgindex_dll(first, last, interval, settings, samples, trace, lots, lot, &found, defects,
                    &no_bumps, NULL, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    for (int i = 0; i < lots; ++i) {
        printf("from %5.1f m on %7.1f mm/km\n", (double)(interval * (float)lot[i].iStart),
               1000.0 * (double)lot[i].RndPI);
    }
    printf("%d defects, above 8 mm:\n", (int)found);
    for (int i = 0; i < found; ++i) {
        if (defects[i].MxHts > 8.0F) {
            printf("%5.1f m to %5.1f m %6.2f mm %s the band\n", (double)defects[i].BeginX,
                   (double)defects[i].EndX, (double)defects[i].MxHts,
                   defects[i].Type == idx_pgdefect_above ? "above" : "below");
        }
    }
    return 0;
}
