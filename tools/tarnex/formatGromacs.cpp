#include "DivertedOutput.h"
#include "formatFunctions.h"
#include "foundation/McFilename.h"
#include "gromacs/GROMACSread.h"
#include "gromacs/GROMACSread_SINGLE.h"
#include "gromacs/GROMACSwrite.h"
#include "gromacs/GROMACSwrite_SINGLE.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "gromacs/frameCodec.h"
#include "model/MolTrajectoryMem.h"
#include "text.h"

#include <cerrno>
#include <filesystem>
#include <numeric>

namespace tarnex::tool {

namespace {

// ---- Structures ----

/// The files that belong to the first one, by extension. Names are empty for what is not given.
struct Companions {
    std::string gro;
    std::string top;

    explicit Companions(FileNames const& files) {
        for (std::size_t i = 1; i < files.size(); ++i) {
            std::string& place = extensionOf(files[i]) == ".top" ? top : gro;
            if (!place.empty()) throw Failure(files[i], "belongs to " + files[0] + ", which has " + place + " already");
            place = files[i];
        }
    }
    char const* topOrNull() const { return top.empty() ? nullptr : top.c_str(); }
};

/// Tells where a .gro file holds less or more than the structure that was read from it.
void compareWithFile(std::string const& file, int numAtoms, Document& document, Console& console) {
    constexpr int linesBeside = 3; // title, count, box
    lengthizer scanner(file.c_str());
    scanner.nextLine();
    int const stated = scanner.getInt(20);
    while (!scanner.eof) scanner.nextLine();
    int const lines = scanner.lineNumber - 1;
    if (stated > numAtoms) {
        document.damage.emplace_back(file, "its count, " + std::to_string(stated) + ", does not fit in five columns");
    } else if (lines < numAtoms + linesBeside - 1) {
        document.damage.emplace_back(file, "ends ahead of the last of its " + counted(numAtoms, "atom"));
    } else if (lines > numAtoms + linesBeside) {
        console.note(file + ": what stands behind the first structure is left out");
    }
}

void requireAtoms(MolTopology const& topology, std::string const& file) {
    if (topology.levels[0]->groups.size == 0) throw Failure(file, "no atoms in it");
}

// ---- Trajectories ----

struct DoublePrecision {
    using Header = TrnHeader;
    using Trajectory = MolTrajectoryGROMACS;
    static constexpr char const* word = "double";

    static MolTrajectory* read(std::string const& trr, Companions const& companions) {
        return GROMACSread(nullptr, nullptr)
            .readGROMACSMolTrajectory(trr.c_str(), companions.gro.c_str(), companions.topOrNull());
    }
    static int write(MolTrajectory* trajectory, char const* name, Console& console) {
        return GROMACSwrite(nullptr, &console).writeGROMACSMolTrajectory(trajectory, name);
    }
};

struct SinglePrecision {
    using Header = TrnHeader_SINGLE;
    using Trajectory = MolTrajectoryGROMACS_SINGLE;
    static constexpr char const* word = "single";

    static MolTrajectory* read(std::string const& trr, Companions const& companions) {
        return GROMACSread_SINGLE(nullptr, nullptr)
            .readGROMACS_SINGLEMolTrajectory(trr.c_str(), companions.gro.c_str(), companions.topOrNull());
    }
    static int write(MolTrajectory* trajectory, char const* name, Console& console) {
        return GROMACSwrite_SINGLE(nullptr, &console).writeGROMACS_SINGLEMolTrajectory(trajectory, name);
    }
};

/// The first frame of a file, taken in one of the precisions.
template <class Precision>
struct FirstFrame {
    typename Precision::Header header;
    /// What its header announces, in bytes.
    long long size = 0;
    long long fileLength = 0;
    /// Whether the file ends behind it or goes on with another frame.
    bool fits = false;

    explicit FirstFrame(std::string const& file)
        : fileLength(static_cast<long long>(std::filesystem::file_size(file))) {
        gromacs::File const stream(std::fopen(file.c_str(), "rb"));
        if (!stream) throw Failure(file, errno);
        gromacs::HeaderExtent const extent = gromacs::readHeader(header, stream.get());
        auto const arrays = gromacs::arrayElements(header);
        auto const elements = std::accumulate(arrays.begin(), arrays.end(), extent.reals);
        size = extent.bytes + static_cast<long long>(elements * sizeof(header.t));
        typename Precision::Header next;
        gromacs::HeaderExtent nextExtent;
        if (std::fseek(stream.get(), static_cast<long>(size), SEEK_SET) == 0) {
            gromacs::readMarks(next, stream.get(), nextExtent);
        }
        fits = size == fileLength || (next.magic == header.magic && next.strLen == header.strLen);
    }
};

/// The frames of a file. A step whose place holds no frame like the first one cannot be read, which the class itself
/// does not tell, and nothing is printed.
template <class Precision>
class FrameSteps : public MolTrajectory {
public:
    FrameSteps(MolTrajectory* fileFrames, typename Precision::Header const& first)
        : MolTrajectory(fileFrames->getTopology()), frames(static_cast<typename Precision::Trajectory*>(fileFrames)),
          strLen(first.strLen), numAtoms(first.natoms) {}

    int getNumTimeSteps() const override { return frames->getNumTimeSteps(); }
    bool getTimeStep(int step, Molecule* molecule) override {
        SilentOutput const silent(stdout);
        if (!frames->getTimeStep(step, molecule)) return false;
        auto const& header = *frames->lastHeader;
        return header.magic == gromacs::frameMagic && header.strLen == strLen && header.natoms == numAtoms;
    }

private:
    McHandle<typename Precision::Trajectory> frames;
    int strLen;
    int numAtoms;
};

template <class Precision, class OtherPrecision>
void warnOfPrecision(FirstFrame<Precision> const& first, std::string const& file, Console& console) {
    if (first.fits || !FirstFrame<OtherPrecision>(file).fits) return;
    bool const isSingle = std::is_same_v<OtherPrecision, SinglePrecision>;
    console.error(file + ": warning: read as " + Precision::word +
                  " precision, but the length of the file is that of " + OtherPrecision::word +
                  " precision: " + (isSingle ? "use --single" : "leave out --single") + " or --from " +
                  (isSingle ? "trr-single" : "trr"));
}

template <class Precision>
void compareWithFile(FirstFrame<Precision> const& first, MolTrajectory& trajectory, std::string const& file,
                     Document& document, Console& console) {
    int const numAtoms = static_cast<int>(trajectory.getTopology()->levels[0]->groups.size);
    if (first.header.natoms != numAtoms) {
        console.error(file + ": warning: its frames have " + counted(first.header.natoms, "atom") +
                      ", the structure has " + std::to_string(numAtoms));
    }
    if (first.size > first.fileLength)
        document.damage.emplace_back(file, "ends within its first frame");
    else if (first.fits && first.fileLength % first.size != 0)
        document.damage.emplace_back(file, "ends within a frame, or has frames of different sizes");
}

template <class Precision, class OtherPrecision>
void readFrames(FileNames const& files, Document& document, Console& console) {
    std::string const& file = files.front();
    Companions const companions(files);
    if (companions.gro.empty()) throw Failure(file, "the structure is missing: name its .gro file behind it");
    FirstFrame<Precision> const first(file);
    if (first.header.magic != gromacs::frameMagic) throw Failure(file, "no .trr file: no frame begins in it");
    if (static_cast<unsigned>(first.header.strLen) > gromacs::longestStrLen) {
        throw Failure(file, "the version text of its first frame is too long");
    }
    McHandle<MolTrajectory> const frames(Precision::read(file, companions));
    if (!frames) throw Failure(companions.gro, "cannot be read");
    requireAtoms(*frames->getTopology(), companions.gro);
    warnOfPrecision<Precision, OtherPrecision>(first, file, console);
    compareWithFile(first, *frames, file, document, console);
    compareWithFile(companions.gro, static_cast<int>(frames->getTopology()->levels[0]->groups.size), document, console);
    frames->getTopology()->setName(McFilename(file.c_str()).basename());
    document.bundle.append(new FrameSteps<Precision>(frames, first.header));
}

// ---- Writing ----

/// What the writers make, which choose extensions of their own, on the way to the temporary files of the output.
class WrittenFiles {
public:
    explicit WrittenFiles(OutputFile const& outputFile) : output(outputFile) {}
    ~WrittenFiles() {
        std::error_code ignored;
        for (char const* extension : {".gro", ".top", ".trr"}) std::filesystem::remove(pathOf(extension), ignored);
    }
    WrittenFiles(WrittenFiles const&) = delete;
    WrittenFiles& operator=(WrittenFiles const&) = delete;

    /// The name to give to a writer.
    char const* name() const { return output.temporary().c_str(); }

    void hand(char const* mainExtension) const {
        moveTo(output.temporary(), mainExtension);
        for (char const* extension : {".gro", ".top"}) moveTo(output.temporaryBeside(extension), extension);
    }

private:
    std::string pathOf(char const* extension) const { return output.temporary() + extension; }
    void moveTo(std::string const& place, char const* extension) const {
        if (place.empty()) return;
        if (std::rename(pathOf(extension).c_str(), place.c_str()) != 0) throw Failure(output.name(), errno);
    }

    OutputFile const& output;
};

MolTrajectory& onlyTrajectoryWithResidues(Bundle const& bundle, OutputFile const& output) {
    MolTrajectory& trajectory = onlyTrajectory(bundle, output, "a GROMACS file holds");
    if (trajectory.getTopology()->getLevelIx("residues") < 0) {
        throw Failure(output.name(), "GROMACS files need residues, and the molecule has none");
    }
    return trajectory;
}

/// The files are read by columns, which what is written may leave.
void noteWideFields(MolTopology const& topology, OutputFile const& output, Console& console) {
    constexpr std::int64_t mostInFiveColumns = 99999;
    constexpr std::size_t widestName = 5;
    auto const hasWideName = [](MtGroupingLevel& level) {
        MtStringAttribute const* types = level.stringAttribute("type", MtGroupingLevel::FIND, true);
        for (int i = 0; types && i < level.groups.size; ++i) {
            if (std::strlen(types->getValue(i)) > widestName) return true;
        }
        return false;
    };
    MtGroupingLevel& atoms = *topology.levels[0];
    MtGroupingLevel& residues = *topology.getLevel(topology.getLevelIx("residues"));
    if (atoms.groups.size > mostInFiveColumns || residues.groups.size > mostInFiveColumns) {
        console.note(output.name() + ": more than 99999 atoms or residues do not fit in the columns of the format");
    }
    if (hasWideName(atoms) || hasWideName(residues)) {
        console.note(output.name() + ": names of more than five characters do not fit in the columns of the format");
    }
}

/// Writes by `write(name)`, whose result is 1 on success.
template <class Write>
void writeFiles(MolTopology const& topology, OutputFile const& output, char const* extension, Console& console,
                Write&& write) {
    noteWideFields(topology, output, console);
    WrittenFiles const files(output);
    errno = 0;
    int const written = write(files.name());
    int const systemError = errno;
    console.throwIfInterrupted();
    if (written != 1) throw Failure(output.name(), systemError != 0 ? systemError : EIO);
    files.hand(extension);
    if (output.namesBeside().empty()) console.note(output.name() + ": the files beside it are left out");
}

template <class Precision>
void writeFrames(Bundle const& bundle, OutputFile const& output, Console& console) {
    MolTrajectory& trajectory = onlyTrajectoryWithResidues(bundle, output);
    writeFiles(*trajectory.getTopology(), output, ".trr", console,
               [&](char const* name) { return Precision::write(&trajectory, name, console); });
}

} // namespace

void readGro(FileNames const& files, Document& document, Console& console) {
    Companions const companions(files);
    std::string const& file = files.front();
    McHandle<Molecule> const molecule(
        GROMACSread(nullptr, &console).readGROMACSMolecule(file.c_str(), companions.topOrNull()));
    if (!molecule) throw Failure(file, "cannot be read");
    requireAtoms(*molecule->getTopology(), file);
    compareWithFile(file, molecule->getNumAtoms(), document, console);
    molecule->getTopology()->setName(McFilename(file.c_str()).basename());
    document.bundle.append(new MolTrajectoryMem(molecule, 1));
}

void writeGro(Bundle const& bundle, OutputFile const& output, Console& console) {
    MolTrajectory& trajectory = onlyTrajectoryWithResidues(bundle, output);
    if (trajectory.getNumTimeSteps() != 1) {
        throw Failure(output.name(), "a .gro file holds one set of coordinates, here are " +
                                         std::to_string(trajectory.getNumTimeSteps()) +
                                         "; take one with --frames, or write a .trr file");
    }
    McHandle<Molecule> const molecule(new Molecule(trajectory.getTopology(), false));
    if (!trajectory.getTimeStep(0, molecule)) throw Failure(output.name(), "the step cannot be read");
    writeFiles(*trajectory.getTopology(), output, ".gro", console,
               [&](char const* name) { return GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(molecule, name); });
}

void readTrr(FileNames const& files, Document& document, Console& console) {
    readFrames<DoublePrecision, SinglePrecision>(files, document, console);
}

void writeTrr(Bundle const& bundle, OutputFile const& output, Console& console) {
    writeFrames<DoublePrecision>(bundle, output, console);
}

void readTrrSingle(FileNames const& files, Document& document, Console& console) {
    readFrames<SinglePrecision, DoublePrecision>(files, document, console);
}

void writeTrrSingle(Bundle const& bundle, OutputFile const& output, Console& console) {
    writeFrames<SinglePrecision>(bundle, output, console);
}

} // namespace tarnex::tool
