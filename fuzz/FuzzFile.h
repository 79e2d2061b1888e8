#pragma once
// Every reader under fuzzing takes a path, as the panel's readers do: the input is written to a file
// of its own in memory-backed storage first, then read back through the real reader.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace kirrel::fuzz {

// A scratch file unique to this process; the same one is rewritten for every input.
inline const std::string& scratchPath(const char* extension) {
    static const std::string path = std::string(access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") +
                                    "/kirrel-fuzz-" + std::to_string(getpid()) + extension;
    return path;
}

inline const std::string& writeInput(const std::uint8_t* data, std::size_t size, const char* extension) {
    const std::string& path = scratchPath(extension);
    if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
        if (size > 0) std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    return path;
}

} // namespace kirrel::fuzz
