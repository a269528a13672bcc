// Runs a fuzzer on the files that are given, without libFuzzer. The fuzzer aborts at an error.

#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        if (!file) {
            std::cerr << "Can't read " << argv[i] << '\n';
            return 1;
        }
        std::cout << argv[i] << std::endl;
        const std::string bytes {std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
    }
    return argc > 1 ? 0 : 1;
}
