#include "model/panner_plugin.h"

namespace {

// Recursive so that model operations can nest; priority inheritance so that the audio thread is
// not held up behind a low-priority editor thread that holds the lock.
bool createModelMutex(pthread_mutex_t& mutex) {
  pthread_mutexattr_t attributes;
  if (pthread_mutexattr_init(&attributes) != 0) return false;
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
  bool created = pthread_mutex_init(&mutex, &attributes) == 0;
  if (!created) {
    // Some systems refuse priority inheritance; a plain recursive mutex still keeps the model safe.
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_NONE);
    created = pthread_mutex_init(&mutex, &attributes) == 0;
  }
  pthread_mutexattr_destroy(&attributes);
  return created;
}

}  // namespace

PannerPlugin::PannerPlugin() {
  host.mutexReady = createModelMutex(host.modelMutex);
}

PannerPlugin::~PannerPlugin() {
  if (host.mutexReady) pthread_mutex_destroy(&host.modelMutex);
}
