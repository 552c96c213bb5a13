/* Whether the engine that loads the module has every name that the binding refers to. */
#pragma once

/* Null when it has. Otherwise the build identifier with the reason behind it: as the module's own identifier
 * it makes PHP refuse the module and print both. */
const char* engine_refusal(const char* build_id);
