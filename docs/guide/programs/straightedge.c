/* The highest bump and the deepest dip of the right track under a straightedge of 3 m. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 }; /* samples */

int main(void) {
    static float profile[room], deflection[room];
    const int32_t samples = read_track("sample_road.csv", 2, profile, room);

    float acceleration; /* root mean square, 1/m */
    int32_t first, last;
    tEvent event;
    if (rse_dlldrv(samples, 0.025F, 3.0F, profile, deflection, &acceleration, &first, &last,
                   &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    if (last < first) {
        puts("the road is shorter than the straightedge");
        return 1;
    }
    int32_t bump = first, dip = first;
    for (int32_t i = first; i <= last; ++i) {
        bump = deflection[i] > deflection[bump] ? i : bump;
        dip = deflection[i] < deflection[dip] ? i : dip;
    }
    printf("%5.1f mm at %6.2f m\n", 1000.0 * (double)deflection[bump], 0.025 * bump);
    printf("%5.1f mm at %6.2f m\n", 1000.0 * (double)deflection[dip], 0.025 * dip);
    return 0;
}
