// Calls of any functions at the same time, good requests and bad ones, each with what it gives
// alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "library/digest.hpp"
#include "library/request_rows.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

struct Task {
    fuzz::Request request;
    std::uint32_t number;
};

std::uint64_t result_of(const Task& task) {
    DigestingCaller caller;
    const auto bytes = bytes_of_request(task.number);
    fuzz::FuzzedHost host(bytes, caller);
    task.request.run(host);
    return caller.digest.value();
}

// The digests of the diagnostic files that a directory holds, by their names.
std::map<std::string, std::uint64_t> files_in(const TemporaryDirectory& directory) {
    std::map<std::string, std::uint64_t> digests;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        const std::string name = entry.path().filename().string();
        Digest digest;
        digest.add_file(directory.text_of(name));
        digests[name] = digest.value();
    }
    return digests;
}

TEST(Threads, GetFromEachCallWhatItGivesAlone) {
    constexpr std::uint32_t threads = 8;
    const TemporaryDirectory directory;
    std::vector<Task> tasks;
    std::vector<std::uint64_t> alone;
    std::map<std::string, std::set<std::uint64_t>> stories; // that a file can tell, by its name
    for (const fuzz::Request& request : fuzz::all_requests()) {
        for (std::uint32_t number = 0; number < requests_of_each; ++number) {
            tasks.push_back({request, number});
            alone.push_back(result_of(tasks.back()));
            for (const auto& [name, digest] : files_in(directory)) {
                stories[name].insert(digest);
            }
        }
    }
    const auto run = [&](std::uint32_t thread) {
        std::vector<std::size_t> order(tasks.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::shuffle(order.begin(), order.end(), std::mt19937(thread));
        for (const std::size_t i : order) {
            EXPECT_EQ(result_of(tasks[i]), alone[i])
                << tasks[i].request.function << ", request " << tasks[i].number;
        }
    };
    std::vector<std::thread> pool;
    for (std::uint32_t thread = 0; thread < threads; ++thread) {
        pool.emplace_back(run, thread);
    }
    for (std::thread& thread : pool) {
        thread.join();
    }
    for (const auto& [name, digest] : files_in(directory)) {
        EXPECT_TRUE(stories[name].contains(digest)) << name << " is not the story of one call";
    }
}

} // namespace
} // namespace vialto::test
