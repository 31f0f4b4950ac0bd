/* How the moving IRI of the right track is spread. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000, half_base_length = 153 /* samples */, classes = 10 };

int main(void) {
    static float profile[room], moving[room];
    const int32_t samples = read_track("sample_road.csv", 2, profile, room);

    const float low = 0.001F, high = 0.005F, step = 0.0005F, limit = 0.0025F; /* m/m */
    float percentages[classes], above;
    tEvent event;
    if (ridecon_dlldrv(vialto_yes, 0.025F, 7.62F, idx_ridests_IRI, samples, profile, moving,
                       &event) != vialto_success ||
        histgrm_dlldrv(vialto_no, classes, samples - 2 * half_base_length, low, high, step, limit,
                       moving + half_base_length, NULL, percentages, &above,
                       &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    for (int k = 0; k < classes - 1; ++k) {
        printf("up to %.1f m/km  %5.1f %%\n", 1.0 + 0.5 * k, (double)percentages[k]);
    }
    printf("above           %5.1f %%\n", (double)percentages[classes - 1]);
    printf("above 2.5 m/km  %5.1f %%\n", (double)above);
    return 0;
}
