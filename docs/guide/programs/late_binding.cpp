// Looks the library up while it runs, and says so where it is not there.
#include <cmath>
#include <cstdio>
#include <vector>
#include <vialto/vialto.hpp>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

static void* address_of(const char* name) {
#ifdef _WIN32
    static const HMODULE library = LoadLibraryA("vialto.dll");
    return library ? reinterpret_cast<void*>(GetProcAddress(library, name)) : nullptr;
#else
    static void* const library = dlopen("libvialto.so.1", RTLD_NOW);
    return library ? dlsym(library, name) : nullptr;
#endif
}

int main() {
    // The header knows the type of each function, with its calling convention.
    const auto ride = reinterpret_cast<decltype(&ride_dlldrv)>(address_of("ride_dlldrv"));
    if (ride == nullptr) {
        std::puts("vialto.dll is not there, or not for this word size");
        return 1;
    }
    std::vector<float> profile(8000); // 200 m of road, one elevation every 25 mm
    for (std::size_t i = 0; i < profile.size(); ++i) {
        profile[i] = 0.005F * std::sin(0.0157F * static_cast<float>(i)); // waves of 10 m
    }
    for (const float interval : {0.025F, 0.0F}) {
        try {
            float iri = 0.0F;
            vialto::call(ride, vialto_no, vialto_yes, idx_ridests_IRI,
                         static_cast<std::int32_t>(profile.size()), profile.data(), nullptr,
                         interval, &iri);
            std::printf("IRI %.2f m/km\n", 1000.0 * static_cast<double>(iri));
        } catch (const vialto::error& problem) {
            std::puts(problem.what());
        }
    }
}
