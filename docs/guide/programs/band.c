/* The waves of 1.07 to 16.45 m of the left track. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 }; /* samples */

int main(void) {
    static float profile[room], same[room], filtered[room], same_filtered[room];
    const int32_t samples = read_track("sample_road.csv", 1, profile, room);
    (void)read_track("sample_road.csv", 1, same, room);

    const tFiltCon band = {.iMainFilterType = idx_filttyp_bwfilt,
                           .iSubFilterType = idx_subfilttyp_bandpass,
                           .iOutType = idx_filtouttyp_elevation,
                           .if250mmFilter = vialto_yes, /* of the IRI that comes along */
                           .xLongWavelength = 16.45F,
                           .xShortWavelength = 1.07F};
    const tProfinfo whole = {
        .i_raw_leadout = samples - 1, .x_sampleinterval = 0.025F, .tFilter = band};
    tProfinfo both[2] = {whole, whole};
    tProfAnalysis analysis = {
        .if_outputfilt = vialto_yes, .if_padding = vialto_yes, .if_upsampling = vialto_no};
    float coefficient, offset;
    tEvent event;
    if (ccfunc(samples, samples, 1, profile, same, &analysis, both, &coefficient, &offset, filtered,
               same_filtered, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    int32_t highest = 0;
    for (int32_t i = 0; i <= both[0].i_filt_leadout; ++i) {
        highest = filtered[i] > filtered[highest] ? i : highest;
    }
    printf("highest at %.2f m: %.1f mm\n", 0.025 * highest, 1000.0 * (double)filtered[highest]);
    return 0;
}
