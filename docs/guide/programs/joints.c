/* The joints of the left track, and the faults there. */
#include <vialto/vialto.h>

#include "road.h"

enum { room = 6400 };
static const float interval = 0.025F; /* m */

int main(void) {
    static float left[room], right[room], fault[room];
    static int32_t left_types[room], right_types[room];
    static double left_places[room], right_places[room];
    const int samples = read_track("sample_road.csv", 1, left, room);
    read_track("sample_road.csv", 2, right, room);

    const tJointIDCfg search = {.i_jntid_method = idx_jntid_antismooth, .xDomJointSpacing = 5.0F};
    tEvent event;
    if (joint_id_dlldrv(&search, interval, samples, left, right, left_types, right_types,
                        left_places, right_places, &event) != vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    int features = 0;
    while (features < samples && left_types[features] != idx_jnttyp_none) {
        fault[features] = 0.0F; /* stays so near an end of the road */
        ++features;
    }
    for (int i = 0; i < samples; ++i) {
        left[i] *= 1000.0F; /* mm */
    }
    if (joint_fault_dlldrv(samples, features, interval, 100.0F, left, left_places, fault, &event) !=
        vialto_success) {
        printf("%.256s\n", event.description);
        return 1;
    }
    printf("%d joints and cracks; faults above 2.5 mm:\n", features);
    for (int i = 0; i < features; ++i) {
        if (fault[i] > 2.5F) {
            printf("%7.2f m  %s %5.2f mm\n", left_places[i],
                   left_types[i] == idx_jnttyp_joint ? "joint" : "crack", (double)fault[i]);
        }
    }
    return 0;
}
