#include "foundation/McProgressInterface.h"

McProgressInterface::~McProgressInterface() = default;
