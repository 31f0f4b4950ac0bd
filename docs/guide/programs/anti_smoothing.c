/* Where the right track leaves the mean of 0.25 m around it farthest, and how far. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 }; /* samples */

int main(void) {
    static float profile[room];
    const int32_t samples = read_track("sample_road.csv", 2, profile, room);

    const float interval = 0.025F, base_length = 0.25F; /* m */
    int32_t first, last;
    tEvent event;
    if (antismth_dlldrv(interval, base_length, samples, profile, &first, &last, &event) !=
        vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    int32_t farthest = first;
    for (int32_t i = first; i <= last; ++i) {
        farthest = profile[i] > profile[farthest] ? i : farthest;
    }
    /* The result is not shifted back. */
    const int32_t shift = (int32_t)(base_length / (2.0F * interval)) + 1;
    printf("%.2f mm at %.3f m\n", 1000.0 * (double)profile[farthest], 0.025 * (farthest + shift));
    return 0;
}
