#include "TextOutput.h"
#include "formatFunctions.h"
#include "text.h"
#include "tripos/TriposIO.h"

#include <sstream>

namespace tarnex::tool {

namespace {

void readMol2File(std::string const& file, Document& document, Console& console) {
    std::ostringstream messages;
    Bundle bundle;
    bool const isWhole = TriposIO(&messages, &console).readTriposBundle(file.c_str(), bundle);
    console.throwIfInterrupted();
    if (!isWhole) {
        Failure const failure(file, reasonInMessages(messages.str()));
        if (bundle.size == 0) throw failure;
        document.damage.push_back(failure);
    }
    for (McHandle<MolTrajectory> const& trajectory : bundle) document.bundle.append(trajectory);
}

/// One step of a trajectory as the writer sees it: the coordinates are fetched when it asks for them, so that only
/// those of one step are in memory.
class Step : public MolTrajectory, public MolObject {
public:
    Step(MolTrajectory& stepSource, int stepNumber)
        : MolTrajectory(stepSource.getTopology()), source(stepSource), number(stepNumber) {}

    int getNumTimeSteps() const override { return 1; }
    bool getTimeStep(int, Molecule* molecule) override { return source.getTimeStep(number, molecule); }
    MolTopology* getTopology() override { return topology; }
    MolTopology const* getTopology() const override { return topology; }
    void getCoordinates(int, McDArray<McVec3f>& out) const override {
        Molecule molecule(topology, false);
        if (!source.getTimeStep(number, &molecule)) throw UnreadableStep{number};
        out.swap(molecule.coords);
    }

    struct UnreadableStep {
        int number;
    };

private:
    MolTrajectory& source;
    int number;
};

} // namespace

void readMol2(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readMol2File(file, document, console);
}

void writeMol2(Bundle const& bundle, OutputFile const& output, Console& console) {
    std::vector<McHandle<Step>> steps;
    McDArray<MolObject*> objects;
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        for (int step = 0; step < trajectory->getNumTimeSteps(); ++step) {
            steps.emplace_back(new Step(*trajectory, step));
            objects.append(steps.back());
        }
    }
    TextOutput file(output);
    std::string const title = file.title();
    try {
        TriposIO(nullptr, &console).write(objects, file.text(), title.c_str(), "charge", "type", "mol2_type");
    } catch (Step::UnreadableStep const& step) {
        throw Failure(output.name(), "step " + std::to_string(step.number) + " cannot be read");
    }
    console.throwIfInterrupted();
    file.finish();
}

} // namespace tarnex::tool
