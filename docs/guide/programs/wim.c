/* The best place for a scale, 30 m from either end: where the worse track is best. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000, away_from_ends = 1200 }; /* samples */

int main(void) {
    static float profile[room], index[2][room];
    int32_t samples = 0;
    for (int side = 0; side < 2; ++side) {
        samples = read_track("sample_road.csv", 1 + side, profile, room);
        tEvent event;
        if (wimindex_dlldrv(vialto_yes, 0.025F, 0.0F, samples, profile, index[side], &event) !=
            vialto_success) {
            printf("%.256s\n", event.description);
            return 1;
        }
    }
    int32_t best = 0;
    float lowest = 1.0F; /* m/m */
    for (int32_t i = away_from_ends; i < samples - away_from_ends; ++i) {
        const float worse = index[0][i] > index[1][i] ? index[0][i] : index[1][i];
        if (worse < lowest) {
            lowest = worse;
            best = i;
        }
    }
    printf("%.2f mm/m at %.2f m\n", 1000.0 * (double)lowest, 0.025 * best);
    return 0;
}
