#pragma once

#include "foundation/McProgressInterface.h"

#include <string>
#include <vector>

namespace tarnex::test {

/// Writes down every call and asks to stop at the question number `stopAt`, counted from 1; never for 0.
class RecordingProgress : public McProgressInterface {
public:
    explicit RecordingProgress(int stopAtQuestion = 0) : stopAt(stopAtQuestion) {}

    void startWorking(char const* format, ...) override { calls.push_back(std::string("start ") + format); }
    void stopWorking() override { calls.emplace_back("stop"); }
    void setProgressValue(float fraction) override { fractions.push_back(fraction); }
    int wasInterrupted(int) override { return ++questions == stopAt ? 1 : 0; }
    void setProgressInfo(char const* format, ...) override { calls.push_back(std::string("info ") + format); }

    std::vector<std::string> calls;
    std::vector<float> fractions;
    int questions = 0;

private:
    int stopAt;
};

} // namespace tarnex::test
