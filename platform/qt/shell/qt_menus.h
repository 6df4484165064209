// A menu of the shell as one of the toolkit. Main thread only.
#pragma once

#include <QMenu>
#include <QObject>

#include "platform/menu.h"

namespace pintle::shell {

/// Makes `shown` hold the items of `menu`. A menu with the same titles keeps its entries and takes the new
/// actions, so that a host that has just read them can still call them.
void fill(QMenu& shown, const Menu& menu);

/// Lets the items' keys work while the menu is open; the toolkit looks for keys in active windows only.
class MenuKeys : public QObject {
  public:
    explicit MenuKeys(QMenu& menu);

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    QMenu& menu_;
};

}  // namespace pintle::shell
