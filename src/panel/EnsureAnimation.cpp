#include "panel/EnsureAnimation.h"

#include "panel/FormBase.h"
#include "panel/Numeric.h"

namespace kirrel::panel {

void Ensure_Animation(FormBase& form, const std::function<void()>& onDeclined,
                      const std::function<void()>& onCreated, const char* question) {
    auto& van = form.van();
    if (van.Van_QuestionBox(question) == 2) {
        if (onDeclined) onDeclined();
        return;
    }
    const double count = leadingNumber(form.askInput(" Create new animation", "Frame count", " 30"));
    if (count <= 1) return;
    van.Van_CreateAnim(count);
    van.Van_ShowScrub(0, van.Van_GetTotalFrames());
    if (onCreated) onCreated();
}

} // namespace kirrel::panel
