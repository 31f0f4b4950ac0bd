// A fixed set of requests to every export, good and failing, over generated roads: what the whole
// library is tried on at once.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "vialto/vialto.h"

namespace vialto::test {

// Stands between a request and the library.
class Host {
public:
    virtual ~Host() = default;

    // Runs one call of the library. The event record is the host's.
    virtual void call(const std::function<std::int32_t(tEvent*)>& function) = 0;

    // Takes note of outputs after a call, also of those that a failure leaves untouched.
    virtual void see(std::span<const unsigned char> bytes) = 0;

    // Values and arrays of them.
    template <class... Outputs>
    void outputs(const Outputs&... values) {
        (output(values), ...);
    }

    template <class Element>
    void output(const std::vector<Element>& values) {
        for (const Element& value : values) {
            output(value);
        }
    }

    // NaNs differ in sign and payload from processor to processor; all are seen as one.
    template <class Value>
    void output(Value value) {
        if constexpr (std::is_floating_point_v<Value>) {
            value = value == value ? value : static_cast<Value>(-12345);
        }
        unsigned char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        see(bytes);
    }
};

// One request: prepares its arrays, makes its call through the host, shows the outputs.
struct Request {
    std::string function; // of the library
    std::function<void(Host&)> run;
};

[[nodiscard]] const std::vector<Request>& corpus();

} // namespace vialto::test
