/// CHARMM: a DCD file of 500 frames of 99,000 atoms in both byte orders, and a PSF file of 1,000,000 atoms.

#include "charmm/MolTrajectoryDCD.h"
#include "model/Molecule.h"
#include "scratch.h"

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr int numFrames = 500;
constexpr int dcdAtoms = 99000;
constexpr int psfAtoms = 999999;
constexpr std::size_t headerBytes = 92 + 92 + 12;

// ---- Files ----

/// A section of entries, as many to a line as is usual.
template <class Entry>
void writeSection(FILE* file, char const* token, int count, int perLine, Entry&& writeEntry) {
    std::fprintf(file, "\n%8d %s\n", count, token);
    for (int i = 0; i < count; ++i) {
        writeEntry(i);
        if ((i + 1) % perLine == 0 || i + 1 == count) std::fputc('\n', file);
    }
}

/// Water molecules, with all sections.
std::string psfFile(int numAtoms) {
    std::string const name = "water" + std::to_string(numAtoms) + ".psf";
    return scratch::generate(name, [numAtoms](FILE* file) {
        std::fprintf(file, "PSF\n\n       1 !NTITLE\n REMARKS water\n\n%8d !NATOM\n", numAtoms);
        char const* const names[] = {"OH2 ", "H1  ", "H2  "};
        for (int i = 0; i < numAtoms; ++i) {
            bool const isOxygen = i % 3 == 0;
            std::fprintf(file, "%8d WAT  %-4d TIP3 %s %s   %9.6f      %8.4f           0\n", i + 1, i / 3 % 9999 + 1,
                         names[i % 3], isOxygen ? "OT  " : "HT  ", isOxygen ? -0.834 : 0.417,
                         isOxygen ? 15.9994 : 1.008);
        }
        auto const group = [file](int i, int size) {
            for (int k = 0; k < size; ++k) std::fprintf(file, " %7d", 3 * i + k % 3 + 1);
        };
        int const waters = numAtoms / 3;
        writeSection(file, "!NBOND: bonds", 2 * waters, 4, [&](int i) { group(i / 2, 2); });
        writeSection(file, "!NTHETA: angles", waters, 3, [&](int i) { group(i, 3); });
        writeSection(file, "!NPHI: dihedrals", waters, 2, [&](int i) { group(i, 4); });
        writeSection(file, "!NIMPHI: impropers", waters / 4, 2, [&](int i) { group(i, 4); });
        writeSection(file, "!NDON: donors", 2 * waters, 4, [&](int i) { group(i / 2, 2); });
        writeSection(file, "!NACC: acceptors", waters, 4, [&](int i) { group(i, 2); });
    });
}

class DcdWriter {
public:
    DcdWriter(FILE* stream, bool otherByteOrder) : file(stream), swapped(otherByteOrder) {}

    void write() {
        std::vector<std::uint32_t> header(21);
        std::memcpy(header.data(), "CORD", 4);
        header[1] = numFrames;
        record(header);
        record(std::vector<std::uint32_t>(21, 1));
        record({dcdAtoms});
        std::vector<std::uint32_t> row(dcdAtoms);
        for (int i = 0; i < 3 * numFrames; ++i) {
            for (float value = static_cast<float>(i); std::uint32_t & bits : row) {
                std::memcpy(&bits, &value, sizeof value);
                value += 0.25F;
            }
            record(row);
        }
    }

private:
    /// With the length at both ends.
    void record(std::vector<std::uint32_t> words) {
        auto const length = static_cast<std::uint32_t>(4 * words.size());
        words.insert(words.begin(), length);
        words.push_back(length);
        if (swapped) {
            for (std::uint32_t& word : words) word = __builtin_bswap32(word);
        }
        std::fwrite(words.data(), 4, words.size(), file);
    }

    FILE* file;
    bool swapped;
};

std::string const& dcdFile(bool swapped) {
    static std::string const files[] = {
        scratch::generate("native.dcd", [](FILE* file) { DcdWriter(file, false).write(); }),
        scratch::generate("swapped.dcd", [](FILE* file) { DcdWriter(file, true).write(); })};
    return files[swapped ? 1 : 0];
}

McHandle<MolTrajectoryDCD> openDcd(bool swapped) {
    static std::string const psf = psfFile(dcdAtoms);
    auto* trajectory = new MolTrajectoryDCD(nullptr);
    trajectory->psfStream = new std::ifstream(psf);
    trajectory->dcdStream = new std::ifstream(dcdFile(swapped));
    trajectory->readPSF();
    trajectory->readDCD();
    return trajectory;
}

// ---- Frames ----

/// Reads the records as blocks and interleaves them, no more.
void DcdLimit(benchmark::State& state) {
    std::string const name = dcdFile(false);
    std::vector<float> records(3 * (dcdAtoms + 2));
    std::vector<float> points(3 * dcdAtoms);
    float const* const x = records.data() + 1;
    float const* const y = x + dcdAtoms + 2;
    float const* const z = y + dcdAtoms + 2;
    for (auto _ : state) {
        FILE* file = std::fopen(name.c_str(), "rb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        std::fseek(file, headerBytes, SEEK_SET);
        while (std::fread(records.data(), sizeof(float), records.size(), file) == records.size()) {
            for (std::size_t i = 0; i < dcdAtoms; ++i) {
                points[3 * i] = x[i];
                points[3 * i + 1] = y[i];
                points[3 * i + 2] = z[i];
            }
            benchmark::DoNotOptimize(points.data());
            benchmark::ClobberMemory();
        }
        std::fclose(file);
    }
}
BENCHMARK(DcdLimit)->Unit(benchmark::kMillisecond);

/// The argument is 1 for the other byte order.
void DcdEveryFrame(benchmark::State& state) {
    auto const trajectory = openDcd(state.range(0) == 1);
    Molecule molecule(trajectory->getTopology(), false);
    for (auto _ : state) {
        for (int i = 0; i < numFrames; ++i) {
            trajectory->getTimeStep(i, &molecule);
            if (molecule.coords[1].x != static_cast<float>(3 * i) + 0.25F) state.SkipWithError("wrong coordinates");
        }
    }
}
BENCHMARK(DcdEveryFrame)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// Opens nothing anew: the frames ahead of the last one have to be passed.
void DcdSkipToLastFrame(benchmark::State& state) {
    auto const trajectory = openDcd(false);
    Molecule molecule(trajectory->getTopology(), false);
    for (auto _ : state) {
        trajectory->framePositions.resize(1);
        trajectory->getTimeStep(numFrames - 1, &molecule);
    }
}
BENCHMARK(DcdSkipToLastFrame)->Unit(benchmark::kMillisecond);

// ---- Topology ----

/// Reads blocks and converts every field that is a number.
void PsfLimit(benchmark::State& state) {
    std::string const name = psfFile(psfAtoms);
    std::int64_t bytes = 0;
    for (auto _ : state) {
        std::unique_ptr<FILE, int (*)(FILE*)> const file(std::fopen(name.c_str(), "rb"), std::fclose);
        std::vector<char> block(256 * 1024);
        double sum = 0;
        std::size_t kept = 0;
        while (std::size_t const count = std::fread(block.data() + kept, 1, block.size() - kept, file.get())) {
            bytes += static_cast<std::int64_t>(count);
            char const* at = block.data();
            char const* end = at + kept + count;
            while (end != at && static_cast<unsigned char>(end[-1]) > ' ') --end;
            while (at != end) {
                float value = 0;
                if (static_cast<unsigned char>(*at) <= ' ') {
                    ++at;
                    continue;
                }
                at = std::from_chars(at, end, value).ptr;
                sum += static_cast<double>(value);
                while (static_cast<unsigned char>(*at) > ' ') ++at;
            }
            kept = static_cast<std::size_t>(block.data() + kept + count - end);
            std::memmove(block.data(), end, kept);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(PsfLimit)->Unit(benchmark::kMillisecond);

void PsfRead(benchmark::State& state) {
    std::string const name = psfFile(psfAtoms);
    std::int64_t bytes = 0;
    for (auto _ : state) {
        McHandle<MolTrajectoryDCD> trajectory(new MolTrajectoryDCD(nullptr));
        trajectory->psfStream = new std::ifstream(name);
        trajectory->readPSF();
        state.PauseTiming();
        MolTopology* topology = trajectory->getTopology();
        if (topology->levels[0]->groups.size != psfAtoms) state.SkipWithError("wrong atoms");
        if (topology->levels[7]->groups.size != psfAtoms / 3) state.SkipWithError("wrong acceptors");
        trajectory->psfStream->seekg(0, std::ios::end);
        bytes += trajectory->psfStream->tellg();
        trajectory = nullptr;
        state.ResumeTiming();
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(PsfRead)->Unit(benchmark::kMillisecond);

} // namespace
