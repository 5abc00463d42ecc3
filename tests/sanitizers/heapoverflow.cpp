// Reads one value past the end of a block.

#include <cstdio>
#include <cstdlib>
#include <memory>

int main() {
    const std::size_t size = 16;
    const auto values = std::make_unique<int[]>(size);
    const volatile std::size_t beyond = size;
    std::printf("%d\n", values[beyond]);
    return EXIT_SUCCESS;
}
