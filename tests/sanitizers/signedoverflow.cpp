// Adds one to the largest int.

#include <climits>
#include <cstdio>
#include <cstdlib>

int main() {
    volatile int value = INT_MAX;
    value = value + 1;
    std::printf("%d\n", value);
    return EXIT_SUCCESS;
}
