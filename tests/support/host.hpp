// What a host has around its calls: a temporary directory, an event record, diagnostic files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "vialto/vialto.h"

namespace vialto::test {

// A directory of its own under the name TMP, for the life of the object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    // The whole text of a file in it; empty if there is none.
    [[nodiscard]] std::string text_of(const std::string& file_name) const;

private:
    std::filesystem::path path_;
    std::optional<std::string> former_;
};

// As a host tells it.
[[nodiscard]] std::int32_t size_of(const auto& list) {
    return static_cast<std::int32_t>(list.size());
}

void set_tmp(const std::string& directory);
void unset_tmp();

// An event record whose every byte is known before the call.
class EventRecord {
public:
    EventRecord();

    operator tEvent*() { return &event_; } // NOLINT: stands for the record's address in a call
    [[nodiscard]] bool untouched() const;
    [[nodiscard]] std::string description() const; // without the padding
    [[nodiscard]] std::string routine() const;
    [[nodiscard]] std::int32_t error_code() const { return event_.error_code; }
    [[nodiscard]] std::int32_t error_type() const { return event_.error_type; }
    // "code type routine: description", for one comparison of the whole event.
    [[nodiscard]] std::string summary() const;
    // What a call that returned this code told of itself: nothing of a success, the summary of a
    // failure, and both where they do not go together.
    [[nodiscard]] std::string outcome(std::int32_t code) const;

private:
    tEvent event_;
};

} // namespace vialto::test
