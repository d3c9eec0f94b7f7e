#include "Machines/Qt/Messages.h"

#include <QString>
#include <QtGlobal>

namespace brivane {
namespace {

/// A message handler knows nothing but what is global.
QtMessageHandler handlerBefore = nullptr;

void pass(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (message.startsWith("This plugin does not support ")) return;
  if (message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")) return;
  if (handlerBefore != nullptr) handlerBefore(type, context, message);
}

}  // namespace

void quietenQt() {
  const QtMessageHandler before = qInstallMessageHandler(pass);
  if (before != pass) handlerBefore = before;
}

}  // namespace brivane
