#include <stdio.h>
#include <string.h>
#include <vialto/vialto.h>

#include "road.h"

enum { room = 10000 };

static int32_t iri_of(int samples, const float profile[], float interval, float* iri) {
    tEvent event;
    return ride_dlldrv(vialto_no, vialto_yes, idx_ridests_IRI, samples, profile, NULL, interval,
                       iri, &event);
}

/* In hexadecimal, as %a writes it, a float is told to the bit. */
static void archive(FILE* file, int samples, const float profile[], float interval, float iri) {
    fprintf(file, "vialto %d.%d.%d, ride_dlldrv, 250 mm average, IRI\n", VIALTO_VERSION_MAJOR,
            VIALTO_VERSION_MINOR, VIALTO_VERSION_PATCH);
    fprintf(file, "%a %a %d\n", (double)interval, (double)iri, samples);
    for (int i = 0; i < samples; ++i) {
        fprintf(file, "%a\n", (double)profile[i]);
    }
}

/* Whether what was archived gives the bits that were archived with it. */
static int recompute(FILE* file) {
    static float profile[room];
    float interval, archived, iri;
    int samples;
    int readable = fscanf(file, "%*[^\n] %f %f %d", &interval, &archived, &samples) == 3;
    for (int i = 0; readable && i < samples; ++i) {
        readable = i < room && fscanf(file, "%f", &profile[i]) == 1;
    }
    return readable && iri_of(samples, profile, interval, &iri) == vialto_success &&
           memcmp(&iri, &archived, sizeof iri) == 0;
}

int main(void) {
    static float left[room];
    int samples = read_track("sample_road.csv", 1, left, room);
    const float interval = 0.025F; /* m */
    float iri;
    FILE* file = tmpfile();
    if (file == NULL || iri_of(samples, left, interval, &iri) != vialto_success) {
        return 1;
    }
    archive(file, samples, left, interval, iri);
    rewind(file);
    printf("IRI %a, recomputed to the bit: %s\n", (double)iri, recompute(file) ? "yes" : "no");
    return fclose(file);
}
