// SIGINT ends the work at the next piece of input, with a summary.
#pragma once

namespace velmora::tool {

void watch_interrupts();
bool is_interrupted();
// Ends the program as the signal would have, when there was one.
void end_if_interrupted();

} // namespace velmora::tool
