// Puts the platform's fonts, pictures and object creation in the place of the portable ones.
#pragma once

namespace vndoc6::com {

void UsePlatformServices();

}  // namespace vndoc6::com
