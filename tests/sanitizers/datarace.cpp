// Two threads count on one plain variable.

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

long counter = 0;

void count() {
    for (int i = 0; i < 100000; ++i) {
        ++counter;
    }
}

} // namespace

int main() {
    std::thread one(count);
    std::thread other(count);
    one.join();
    other.join();
    std::printf("%ld\n", counter);
    return EXIT_SUCCESS;
}
