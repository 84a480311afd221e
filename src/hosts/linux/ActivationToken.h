#pragma once

namespace navora {

// The desktop has let the user's click on something outside of our windows raise one of them: the
// next window that asks to be in front does so with this token.
void useActivationToken(const char* token);

}  // namespace navora
