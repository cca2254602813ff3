#include "workers.h"

#include <algorithm>
#include <vector>

namespace gstkip {
namespace {

/// One band, as a task of the pool.
struct Task {
  const Workers::Band* band;
  int worker, first, rows;
  KipStatus status = kipStatusOk;
  gpointer id = nullptr;

  void run() { status = (*band)(worker, first, rows); }
};

void runTask(void* task) { static_cast<Task*>(task)->run(); }

std::vector<Task> split(int rows, int unit, int count, const Workers::Band& band) {
  std::vector<Task> tasks;
  const int units = (rows - 1) / unit + 1;
  for (int worker = 0, begin = 0; worker < count && begin < units; ++worker) {
    const int end = static_cast<int>(gint64{units} * (worker + 1) / count);
    if (end == begin) continue;
    const int first = begin * unit;
    tasks.push_back({&band, worker, first, end == units ? rows - first : (end - begin) * unit});
    begin = end;
  }
  return tasks;
}

}  // namespace

void Workers::setCount(unsigned count) {
  const int wanted = static_cast<int>(std::min(count == 0 ? g_get_num_processors() : count, unsigned{G_MAXINT16}));
  if (wanted == count_) return;
  stop();
  count_ = wanted;
}

KipStatus Workers::run(int rows, int unit, const Band& band) {
  std::vector<Task> tasks = split(rows, unit, count_, band);
  if (tasks.size() > 1 && !pool_) {
    pool_ = gst_shared_task_pool_new();
    gst_shared_task_pool_set_max_threads(GST_SHARED_TASK_POOL(pool_), count_ - 1);
    gst_task_pool_prepare(pool_, nullptr);
  }
  for (size_t i = 1; i < tasks.size(); ++i) {
    tasks[i].id = gst_task_pool_push(pool_, runTask, &tasks[i], nullptr);
    if (!tasks[i].id) tasks[i].run();  // no thread to be had
  }
  tasks[0].run();
  for (Task& task : tasks) {
    if (task.id) gst_task_pool_join(pool_, task.id);
  }
  const auto failed = std::find_if(tasks.begin(), tasks.end(), [](const Task& t) { return t.status != kipStatusOk; });
  return failed == tasks.end() ? kipStatusOk : failed->status;
}

void Workers::stop() {
  if (!pool_) return;
  gst_task_pool_cleanup(pool_);
  gst_clear_object(&pool_);
}

}  // namespace gstkip
