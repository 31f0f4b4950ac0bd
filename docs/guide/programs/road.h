/* The road of the programs beside this file. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/*
 * read_track: one column of numbers out of a CSV file. Lines without a number there, such as the
 * header, are passed over. A file that cannot be opened ends the program.
 *
 *   path    the file, such as "sample_road.csv"
 *   column  counted from 0: in the sample road 1 is the left track and 2 the right one, in metres
 *   track   [room] the numbers
 *   room    how many the array has room for; the rest of the file is not read
 *
 * Returns how many were read.
 */
static inline int read_track(const char* path, int column, float track[], int room) {
    FILE* file = fopen(path, "r");
    if (file == NULL) {
        perror(path);
        exit(1);
    }
    int samples = 0;
    char line[256];
    while (samples < room && fgets(line, sizeof line, file) != NULL) {
        const char* cell = strtok(line, ",");
        for (int i = 0; i < column && cell != NULL; ++i) {
            cell = strtok(NULL, ",");
        }
        if (cell != NULL && sscanf(cell, "%f", &track[samples]) == 1) {
            ++samples;
        }
    }
    fclose(file);
    return samples;
}
