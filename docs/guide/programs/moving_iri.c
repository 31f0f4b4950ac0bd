/* Where the moving IRI of the right track exceeds a limit. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 }; /* samples */

int main(void) {
    static float profile[room], moving[room];
    const int32_t samples = read_track("sample_road.csv", 2, profile, room);

    const float interval = 0.025F;   /* m */
    const float base_length = 7.62F; /* m */
    const float limit = 0.0025F;     /* m/m */
    tEvent event;
    if (ridecon_dlldrv(vialto_yes, interval, base_length, idx_ridests_IRI, samples, profile, moving,
                       &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    for (int32_t first = 0, behind; first < samples; first = behind) {
        float highest = 0.0F;
        for (behind = first; behind < samples && moving[behind] > limit; ++behind) {
            highest = moving[behind] > highest ? moving[behind] : highest;
        }
        if (behind > first) {
            printf("from %6.2f m to %6.2f m: up to %.2f m/km\n", 0.025 * first, 0.025 * behind,
                   1000.0 * (double)highest);
        } else {
            ++behind;
        }
    }
    return 0;
}
