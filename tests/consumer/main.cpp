// Any record's header also brings the base object, the exceptions and the logger.
#include <routerinterface/MastershipState.h>

#include <memory>

int main()
{
    PELLU300ROUTERINTERFACEXML::MastershipState state;
    const MODELKIT::IMKObject& base = state;
    base.SetLogger(std::make_shared<MODELKIT::Logger>());
    base.SetValidate(true);
    try {
        state.SetState(static_cast<PELLU300ROUTERINTERFACEXML::MastershipState::State>(3));
    } catch (const OutOfRangeException&) {
        return state.GetXmlString().isEmpty() ? 2 : 0;
    }
    return 1;
}
