#include "upload/OwnMemory.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace snapvane::testing {

namespace {

constexpr std::size_t windowSize = 1024 * 1024;
/// What is larger has been set aside by a sanitizer for its own records.
constexpr std::uintptr_t largestRegion = std::uintptr_t{4} * 1024 * 1024 * 1024;

/// What is looked at goes in here, and is not looked at in its turn.
class Window {
public:
    Window()
        : m_bytes(static_cast<unsigned char*>(mmap(nullptr, windowSize, PROT_READ | PROT_WRITE,
                                                   MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
          m_memory(open("/proc/self/mem", O_RDONLY | O_CLOEXEC)) {
        if (m_bytes == MAP_FAILED || m_memory < 0) {
            throw std::runtime_error("cannot look at the process's own memory");
        }
    }
    ~Window() {
        munmap(m_bytes, windowSize);
        close(m_memory);
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool isAt(std::uintptr_t address) const {
        const auto begin = reinterpret_cast<std::uintptr_t>(m_bytes);
        return address >= begin && address < begin + windowSize;
    }
    int count(std::uintptr_t begin, std::uintptr_t end, const QByteArray& invertedBytes) {
        const auto length = static_cast<std::size_t>(invertedBytes.size());
        int found = 0;
        for (std::uintptr_t at = begin; at < end; at += windowSize - length + 1) {
            const std::size_t wanted = std::min<std::size_t>(windowSize, end - at);
            const ssize_t got = pread(m_memory, m_bytes, wanted, static_cast<off_t>(at));
            if (got >= static_cast<ssize_t>(length)) {
                found += count(m_bytes, m_bytes + got - length + 1, invertedBytes);
            }
        }
        return found;
    }

private:
    static int count(const unsigned char* begin, const unsigned char* end,
                     const QByteArray& invertedBytes) {
        const auto first = static_cast<unsigned char>(~invertedBytes.front());
        int found = 0;
        for (const auto* at = begin; at < end; ++at) {
            at = static_cast<const unsigned char*>(
                std::memchr(at, first, static_cast<std::size_t>(end - at)));
            if (at == nullptr) {
                break;
            }
            found += matches(at, invertedBytes) ? 1 : 0;
        }
        return found;
    }
    static bool matches(const unsigned char* bytes, const QByteArray& invertedBytes) {
        for (const char expected : invertedBytes) {
            if (*bytes != static_cast<unsigned char>(~expected)) {
                return false;
            }
            ++bytes;
        }
        return true;
    }

    unsigned char* m_bytes;
    int m_memory;
};

struct Region {
    std::uintptr_t begin;
    std::uintptr_t end;
};

std::vector<Region> writableRegions() {
    std::vector<Region> regions;
    std::FILE* const maps = std::fopen("/proc/self/maps", "re");
    unsigned long begin = 0;
    unsigned long end = 0;
    char rights[5] = {};
    while (maps != nullptr && std::fscanf(maps, "%lx-%lx %4s%*[^\n]", &begin, &end, rights) == 3) {
        if (rights[1] == 'w' && end - begin <= largestRegion) {
            regions.push_back({begin, end});
        }
    }
    std::fclose(maps);
    return regions;
}

} // namespace

int countInOwnMemory(const QByteArray& invertedBytes) {
    Window window;
    int found = 0;
    for (const Region& region : writableRegions()) {
        if (!window.isAt(region.begin)) {
            found += window.count(region.begin, region.end, invertedBytes);
        }
    }
    return found;
}

QByteArray inverted(QByteArray bytes) {
    for (char& byte : bytes) {
        byte = static_cast<char>(~byte);
    }
    return bytes;
}

} // namespace snapvane::testing
