#include <stdio.h>
#include <stdlib.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 };

static void tell(const char* call, int32_t outcome, const tEvent* event) {
    char text[vialto_text_length + 1];
    printf("%s: %s\n", call, outcome == vialto_success ? "done" : "failed");
    if (outcome == vialto_failure) {
        printf("  description  %s\n", vialto_c_string(event->description, text));
        printf("  routine      %s\n", vialto_c_string(event->routine, text));
        printf("  error_code   %d\n  error_type   %d\n", event->error_code, event->error_type);
    }
}

int main(void) {
    static float left[room], moving[room], trace[room];
    int samples = read_track("sample_road.csv", 1, left, room);
    const float interval = 0.025F; /* m */
    const float wheels[] = {1.905F, 2.286F, 2.667F, 3.048F, 3.429F, 3.81F};
    int32_t first, last;
    tEvent event;

    int32_t outcome = ridecon_dlldrv(vialto_yes, interval, 300.0F, idx_ridests_IRI, samples, left,
                                     moving, &event);
    tell("moving IRI over 300 m", outcome, &event);

    outcome = pgfilt_dll(0, 199, interval, 6, samples, wheels, left, trace, &first, &last, &event);
    tell("profilograph on 5 m", outcome, &event);

    outcome = pgfilt_dll(0, 199, interval, 6, samples, NULL, left, trace, &first, &last, &event);
    tell("profilograph without wheels", outcome, &event);

    setenv("TMP", "/no/such/directory", 1);
    outcome = pgfilt_dll(0, samples - 1, interval, 6, samples, wheels, left, trace, &first, &last,
                         &event);
    tell("profilograph without a directory", outcome, &event);
    return 0;
}
