#include "app/Services.h"

namespace orwick {

Services& services()
{
    static Services shared;
    return shared;
}

} // namespace orwick
