#include "Machines/Qt/Toolkit/Messages.h"

#include <QString>
#include <QtGlobal>
#include <utility>

namespace brivane {
namespace {

/// A message handler is a plain function, so it needs globals.
QtMessageHandler handlerBefore = nullptr;
Task serverHasGone;

void pass(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith("This plugin does not support ")) return;
  if (message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")) return;
  if (serverHasGone && message.startsWith("The X11 connection broke")) {
    serverHasGone();
    return;
  }
  if (handlerBefore != nullptr) handlerBefore(type, context, message);
}

}  // namespace

QtMessages::QtMessages(Task whenServerHasGone) {
  serverHasGone = std::move(whenServerHasGone);
  handlerBefore = qInstallMessageHandler(pass);
}

QtMessages::~QtMessages() {
  qInstallMessageHandler(handlerBefore);
  serverHasGone = nullptr;
}

}  // namespace brivane
