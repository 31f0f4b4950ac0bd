/* A host that needs nothing but the library. It exits with 0 when a rough road has an IRI. */
#include <vialto/vialto.h>

enum { samples = 2000 };

int _fltused; /* Microsoft's runtime has it for programs that use floating-point numbers */

int main(void) {
    static float profile[samples];
    static tEvent event;
    float iri = 0.0F;
    int i;
    for (i = 0; i < samples; ++i) {
        profile[i] = 0.001F * (float)(i % 40);
    }
    if (ride_dlldrv(vialto_no, vialto_yes, idx_ridests_IRI, samples, profile, NULL, 0.1F, &iri,
                    &event) != vialto_success) {
        return 1;
    }
    return iri > 0.0F ? 0 : 1;
}
