/* Ten runs over the left track, every sixth sample of it, each run 0.1 mm above the one before. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400, runs = vialto_repeatability_runs, points = vialto_repeatability_points };

int main(void) {
    static float profile[room], truth[points], run[runs][points];
    read_track("sample_road.csv", 1, profile, room);
    for (int j = 0; j < points; ++j) {
        truth[j] = profile[6 * j];
        for (int k = 0; k < runs; ++k) {
            run[k][j] = truth[j] + 0.0001F * (float)k; /* m */
        }
    }
    float precision, bias;
    int32_t precision_class, bias_class;
    tEvent event;
    if (pcbia_dlldrv(&run[0][0], truth, &precision, &bias, &precision_class, &bias_class, &event) !=
        vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("precision %.3f mm, class %d\n", (double)precision, (int)precision_class);
    printf("bias      %.3f mm, class %d\n", (double)bias, (int)bias_class);
    return 0;
}
