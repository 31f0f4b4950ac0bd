/* The slope density of the left track, in octaves. */
#include <stdio.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000, points_per_octave = 1 };

int main(void) {
    static float profile[room], wavenumber[room], density[room];
    const int32_t samples = read_track("sample_road.csv", 1, profile, room);

    int32_t first, last;
    tEvent event;
    if (psd_dll(0, samples - 1, idx_psdtyp_slope, idx_psdband_octave, points_per_octave, 0.0F,
                samples, 0.025F, profile, wavenumber, density, &first, &last,
                &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    puts("wavelength, m   slope density, mm");
    for (int32_t i = first; i <= last; ++i) {
        printf("%13.2f   %17.4f\n", 1.0 / (double)wavenumber[i], 1000.0 * (double)density[i]);
    }
    return 0;
}
