// Holds the text of all 2^32 floats to that of std::to_chars, on all cores.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "frame/shortest_digits_check.hpp"

int main() {
    constexpr std::uint64_t floats = std::uint64_t{1} << 32;
    std::atomic<std::uint64_t> wrong = 0;
    const std::uint64_t workers = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::thread> threads;
    for (std::uint64_t worker = 0; worker < workers; ++worker) {
        threads.emplace_back([&wrong, worker, workers] {
            for (std::uint64_t i = worker; i < floats; i += workers) {
                const auto bits = static_cast<std::uint32_t>(i);
                const std::string text = vialto::test::wrong_text(bits);
                if (!text.empty() && ++wrong <= 20) {
                    std::printf("%08x %s\n", static_cast<unsigned>(bits), text.c_str());
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::printf("%llu of %llu floats have other digits\n",
                static_cast<unsigned long long>(wrong.load()),
                static_cast<unsigned long long>(floats));
    return wrong == 0 ? 0 : 1;
}
