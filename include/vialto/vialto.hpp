/*
 * Vialto for C++17: a call that failed is an exception.
 *
 *     float iri = 0.0F;
 *     vialto::call(ride_dlldrv, vialto_no, vialto_yes, idx_ridests_IRI, samples, profile, nullptr,
 *                  interval, &iri);
 *
 * The functions, their contracts and their other arguments are those of vialto.h.
 */
#ifndef VIALTO_VIALTO_HPP
#define VIALTO_VIALTO_HPP

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "vialto.h"

namespace vialto {

// What a tEvent says of a failure, its texts without their padding.
class error : public std::runtime_error {
public:
    explicit error(const tEvent& event)
        : error(unpadded(event.description), unpadded(event.routine), event.error_code,
                event.error_type) {}

    std::string description;
    std::string routine;
    std::int32_t error_code; // vialto_code_...
    std::int32_t error_type; // vialto_type_...

private:
    error(std::string words, std::string where, std::int32_t code, std::int32_t type)
        : std::runtime_error(words + " (" + where + ", code " + std::to_string(code) + ")"),
          description(std::move(words)), routine(std::move(where)), error_code(code),
          error_type(type) {}

    static std::string unpadded(const char (&padded)[vialto_text_length]) {
        char text[vialto_text_length + 1];
        return vialto_c_string(padded, text);
    }
};

// Calls a function of the library with its arguments but the last, the event, and throws an error
// if it fails.
template <class... Parameters, class... Arguments>
void call(std::int32_t(VIALTO_CALL* function)(Parameters...), Arguments&&... arguments) {
    tEvent event;
    if (function(std::forward<Arguments>(arguments)..., &event) != vialto_success) {
        throw error(event);
    }
}

} // namespace vialto

#endif
