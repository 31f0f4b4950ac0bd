/* Uses whatever the header makes of macros and inline functions, in the oldest language it serves. */
#include <vialto/vialto.h>

#if VIALTO_VERSION < 10000
#error "older than its first version"
#endif

int main(void) {
    float settings[idx_pgset_count];
    float trace = 0.0F;
    int32_t count = 0;
    char text[vialto_text_length + 1];
    tPGLot lot;
    tPGDefect defect;
    tEvent event;
    settings[idx_pgset_BlankingBand] = 2.54F;
    if (pgindex_dll(0, 0, 0.0F, settings, 1, &trace, 0, &lot, &count, &defect, &count, &defect,
                    &event) == vialto_failure) {
        return vialto_c_string(event.description, text)[0];
    }
    return 0;
}
