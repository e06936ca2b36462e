#include "Failure.h"

#include "charmm/DCDException.h"
#include "foundation/McException.h"
#include "text.h"
#include "textio/Parse_Error.h"
#include "textio/numberText.h"

#include <cstring>
#include <exception>
#include <new>

namespace tarnex::tool {

Failure::Failure(std::string const& file, std::string const& reason) : message(printable(file + ": " + reason)) {}

Failure::Failure(std::string const& file, int systemError) : Failure(file, std::string(std::strerror(systemError))) {}

std::string reasonOfCurrentException() {
    try {
        throw;
    } catch (Failure const&) {
        throw;
    } catch (WrongUse const&) {
        throw;
    } catch (Interrupted const&) {
        throw;
    } catch (Parse_Error const& error) {
        return error.message;
    } catch (FloatConversion_Error const&) {
        return "a number does not fit in its columns";
    } catch (DCDException const& error) {
        return static_cast<char const*>(error.message);
    } catch (McException const& error) {
        return error.getMessage();
    } catch (std::bad_alloc const&) {
        return "not enough memory";
    } catch (std::exception const& error) {
        return error.what();
    }
}

} // namespace tarnex::tool
