#include "support/host.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <string_view>

#if defined(_WIN32)
#include <windows.h>
#endif

#include "frame/fixed_text.hpp"

namespace vialto::test {

namespace {

constexpr unsigned char fill_byte = 0xA5;

std::string unpadded(const char (&text)[256]) {
    return std::string(trim_trailing_blanks({text, sizeof text}));
}

} // namespace

void set_tmp(const std::string& directory) {
#if defined(_WIN32)
    SetEnvironmentVariableA("TMP", directory.c_str()); // past the C runtime
#else
    setenv("TMP", directory.c_str(), 1);
#endif
}

void unset_tmp() {
#if defined(_WIN32)
    SetEnvironmentVariableA("TMP", nullptr);
#else
    unsetenv("TMP");
#endif
}

TemporaryDirectory::TemporaryDirectory() {
    if (const char* former = std::getenv("TMP"); former != nullptr) {
        former_ = former;
    }
    std::random_device entropy;
    path_ = std::filesystem::temp_directory_path() / ("vialto-" + std::to_string(entropy()));
    std::filesystem::create_directories(path_);
    set_tmp(path_.string());
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
    if (former_) {
        set_tmp(*former_);
    } else {
        unset_tmp();
    }
}

std::string TemporaryDirectory::text_of(const std::string& file_name) const {
    std::ostringstream text;
    text << std::ifstream(path_ / file_name).rdbuf();
    return text.str();
}

EventRecord::EventRecord() {
    std::memset(&event_, fill_byte, sizeof event_);
}

bool EventRecord::untouched() const {
    unsigned char bytes[sizeof event_];
    std::memcpy(bytes, &event_, sizeof event_);
    return std::all_of(std::begin(bytes), std::end(bytes),
                       [](unsigned char byte) { return byte == fill_byte; });
}

std::string EventRecord::description() const {
    return unpadded(event_.description);
}

std::string EventRecord::routine() const {
    return unpadded(event_.routine);
}

std::string EventRecord::summary() const {
    return std::to_string(event_.error_code) + " " + std::to_string(event_.error_type) + " " +
           routine() + ": " + description();
}

std::string EventRecord::outcome(std::int32_t code) const {
    const std::string told = untouched() ? "" : summary();
    const bool fits = code == (untouched() ? vialto_success : vialto_failure);
    return fits ? told : "returned " + std::to_string(code) + " with the event '" + told + "'";
}

} // namespace vialto::test
