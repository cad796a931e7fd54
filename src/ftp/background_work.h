#pragma once
// Network work of the FTP windows runs on a thread of its own so that a slow or
// dead recorder never freezes the window; the result comes back on the window's
// thread. When the window is gone by then, the result is dropped.
#include <QObject>
#include <QThread>
#include <functional>
#include <memory>

namespace recscope {

template <class Result>
void RunInBackground(QObject *context, std::function<Result()> work,
                     std::function<void(const Result &)> done) {
  auto result = std::make_shared<Result>();
  QThread *thread = QThread::create([result, work] { *result = work(); });
  QObject::connect(thread, &QThread::finished, context, [result, done] { done(*result); });
  QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
  thread->start();
}

}  // namespace recscope
