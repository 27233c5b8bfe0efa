// What tests need of the system and each system has in its own way.
#pragma once

namespace platform {

// Fails the test unless that many type descriptions are handed out and not yet back. A system's
// own COM can't be asked, and isn't.
void expectDescriptionsOut(int count);

// The environment variable that says where the user's data is kept.
extern const char* const userDataVariable;

// Sets a variable of the environment; null removes it.
void setVariable(const char* name, const char* value);

} // namespace platform
