#pragma once

class QMdiArea;

namespace shell {

// Lay out the child windows that are not minimised over the whole area, in opening order.
void stackRows(QMdiArea& area);       // one below the other, each as wide as the area
void standSideBySide(QMdiArea& area); // next to each other, each as high as the area

} // namespace shell
