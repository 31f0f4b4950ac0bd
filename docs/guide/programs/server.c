#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <vialto/vialto.h>

#include "road.h"

enum { workers = 4, requests = 5, room = 10000 };

/* What a client asks for, and the answer: no thread but the one that took it writes to it. */
typedef struct {
    float base_length; /* m */
    int32_t outcome;
    float worst; /* moving IRI, m/m, between the ends */
    tEvent event;
} Request;

static float left[room];
static int samples;
static const float interval = 0.025F; /* m */

static Request queue[requests] = {{.base_length = 3.0F},
                                  {.base_length = 7.62F},
                                  {.base_length = 25.0F},
                                  {.base_length = 300.0F},
                                  {.base_length = 100.0F}};
static int taken;
static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;

static Request* next_request(void) {
    pthread_mutex_lock(&lock);
    Request* request = taken < requests ? &queue[taken++] : NULL;
    pthread_mutex_unlock(&lock);
    return request;
}

static void answer(Request* request, float* moving) {
    request->outcome = ridecon_dlldrv(vialto_yes, interval, request->base_length, idx_ridests_IRI,
                                      samples, left, moving, &request->event);
    int half = (int)(request->base_length / 2.0F / interval);
    for (int i = half; request->outcome == vialto_success && i < samples - half; ++i) {
        request->worst = moving[i] > request->worst ? moving[i] : request->worst;
    }
}

static void* work(void* nothing) {
    float* moving = malloc(room * sizeof *moving); /* the thread's own output */
    for (Request* request; moving != NULL && (request = next_request()) != NULL;) {
        answer(request, moving);
    }
    free(moving);
    return nothing;
}

int main(void) {
    /* Ahead of the first thread: nobody touches the environment afterwards. */
    char directory[] = "/tmp/server-XXXXXX";
    if (mkdtemp(directory) == NULL || setenv("TMP", directory, 1) != 0) {
        perror(directory);
        return 1;
    }
    samples = read_track("sample_road.csv", 1, left, room);

    pthread_t pool[workers];
    for (int i = 0; i < workers; ++i) {
        if (pthread_create(&pool[i], NULL, work, NULL) != 0) {
            perror("pthread_create");
            return 1;
        }
    }
    for (int i = 0; i < workers; ++i) {
        pthread_join(pool[i], NULL);
    }

    for (int i = 0; i < requests; ++i) {
        char text[vialto_text_length + 1];
        if (queue[i].outcome == vialto_success) {
            printf("%6.2f m: worst %.2f m/km\n", (double)queue[i].base_length,
                   1000.0 * (double)queue[i].worst);
        } else {
            printf("%6.2f m: %s\n", (double)queue[i].base_length,
                   vialto_c_string(queue[i].event.description, text));
        }
    }

    char file[64];
    snprintf(file, sizeof file, "%s/ridecon_dlldrv.txt", directory);
    return remove(file) != 0 || remove(directory) != 0;
}
