/* The shortest possible host: a profile in, its IRI out. */
#include <math.h>
#include <stdio.h>
#include <vialto/vialto.h>

enum { samples = 8000 }; /* 200 m of road, one elevation every 25 mm */

int main(void) {
    static float profile[samples];
    for (int i = 0; i < samples; ++i) {
        profile[i] = 0.005F * sinf(0.0157F * (float)i); /* waves of 10 m, 5 mm high */
    }
    float iri;
    tEvent event;
    if (ride_dlldrv(vialto_no, vialto_yes, idx_ridests_IRI, samples, profile, NULL, 0.025F, &iri,
                    &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("IRI %.2f m/km\n", 1000.0 * (double)iri);
    return 0;
}
