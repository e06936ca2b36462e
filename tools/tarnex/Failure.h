#pragma once

#include <string>
#include <utility>

namespace tarnex::tool {

enum ExitStatus : int { succeeded = 0, failed = 1, wrongUse = 2 };

/// The work on a file cannot be done. The message is "FILE: reason", in one line.
struct Failure {
    Failure(std::string const& file, std::string const& reason);
    /// The reason is that of the system for an `errno` value.
    Failure(std::string const& file, int systemError);

    /// The same failure with more to say.
    Failure followedBy(std::string const& text) const {
        Failure longer = *this;
        longer.message += text;
        return longer;
    }

    std::string message;
};

/// The command line asks for something that does not exist.
struct WrongUse {
    std::string message;
};

/// The user asked to stop.
struct Interrupted {};

/// What the exception that is being handled says. Those above pass through.
std::string reasonOfCurrentException();

/// Does a piece of work; any exception of the library that ends it becomes a `Failure` of this file.
template <class Work>
void workOn(std::string const& file, Work&& work) {
    try {
        std::forward<Work>(work)();
    } catch (...) {
        throw Failure(file, reasonOfCurrentException());
    }
}

} // namespace tarnex::tool
