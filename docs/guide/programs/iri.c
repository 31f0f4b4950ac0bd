/* The IRI of the left track of the sample road, and the mean of both tracks. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 }; /* samples */

int main(void) {
    static float left[room], right[room];
    const int32_t samples = read_track("sample_road.csv", 1, left, room);
    (void)read_track("sample_road.csv", 2, right, room);

    const float interval = 0.025F; /* m */
    float iri = 0.0F, mri = 0.0F;  /* m/m */
    tEvent event;
    if (ride_dlldrv(vialto_no, vialto_yes, idx_ridests_IRI, samples, left, NULL, interval, &iri,
                    &event) != vialto_success ||
        ride2chan_dlldrv(vialto_no, vialto_yes, idx_ridests_MRI, samples, left, right, NULL,
                         interval, &mri, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("IRI of the left track %.2f m/km, MRI %.2f m/km\n", 1000.0 * (double)iri,
           1000.0 * (double)mri);
    return 0;
}
