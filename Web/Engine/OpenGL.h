#pragma once

namespace web {

/// Whether what the show draws is drawn from now on. For frames that nobody will see: every frame of the show
/// begins with a clear, so none lives on in the next.
void setDrawing(bool on);
/// What the page keeps of former drawings is lost, or belongs to another moment.
void forgetDrawn();

} // namespace web
