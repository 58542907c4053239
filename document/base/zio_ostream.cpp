#include "zio_ostream.h"

#include <cstdio>

constinit zio_ostream zio_cout;

zio_ostream& zio_ostream::print(char const* text) {
    if (text) std::fputs(text, stdout);
    return *this;
}

zio_ostream& zio_ostream::print_int(int number) {
    std::printf("%d", number);
    return *this;
}

zio_ostream& zio_ostream::put(char character) {
    std::putchar(character);
    return *this;
}

zio_ostream& zio_ostream::flush() {
    std::fflush(stdout);
    return *this;
}
