/* How well the right track agrees with the left one, as the filter of the IRI sees both. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400 };

int main(void) {
    static float left[room], right[room];
    const int samples = read_track("sample_road.csv", 1, left, room);
    read_track("sample_road.csv", 2, right, room);

    tProfAnalysis analysis = {.if_outputfilt = vialto_no,
                              .if_padding = vialto_yes,
                              .if_upsampling = vialto_yes,
                              .x_offset_max = 3.0F};
    const tProfinfo whole = {.i_raw_leadin = 0,
                             .i_raw_leadout = samples - 1,
                             .x_sampleinterval = 0.025F,
                             .tFilter = {.iMainFilterType = idx_filttyp_IRI,
                                         .iOutType = idx_filtouttyp_slope,
                                         .if250mmFilter = vialto_yes}};
    tProfinfo profiles[2] = {whole, whole}; /* the reference, then the test profile */
    int32_t offsets;
    tEvent event;
    if (CC_CoeffArray(&offsets, &analysis, profiles, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    float* agreement = malloc((size_t)offsets * sizeof *agreement);
    float* offset = malloc((size_t)offsets * sizeof *offset);
    if (ccfunc(samples, samples, offsets, left, right, &analysis, profiles, agreement, offset, NULL,
               NULL, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("%d offsets, the best at %.3f m\n", (int)offsets, (double)analysis.x_opt_offset);
    printf("agreement %.1f %%: shape %.1f %%, amplitude %.3f\n", (double)analysis.x_opt_finalcc,
           (double)analysis.x_opt_roughcc, (double)analysis.x_opt_shapefactor);
    printf("IRI %.2f and %.2f m/km\n", 1000.0 * (double)analysis.x_ref_iri,
           1000.0 * (double)analysis.x_test_iri);
    free(agreement);
    free(offset);
    return 0;
}
