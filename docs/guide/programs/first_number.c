#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

int main(void) {
    static float left[10000];
    int samples = read_track("sample_road.csv", 1, left, 10000);
    float interval = 0.025F; /* m */

    float iri;
    tEvent event;
    if (ride_dlldrv(vialto_no, vialto_yes, idx_ridests_IRI, samples, left, NULL, interval, &iri,
                    &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("IRI %.2f m/km\n", 1000.0 * (double)iri);
    return 0;
}
