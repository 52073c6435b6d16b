// SPDX-License-Identifier: GPL-3.0-or-later
// Registers an object type whose instances hold a C++ state.
#pragma once

#include <memory>

#include <glib-object.h>

namespace varnholt {

/**
 * Registers the type `struct Instance : ParentInstance, State` with `struct Class : ParentClass`.
 * The state is constructed with each instance and destroyed when the instance is finalized, before
 * the parent class finalizes the rest.
 */
template <typename Instance, typename Class, typename State>
class ObjectType {
 public:
  /**
   * Returns the type, which the first call registers; `class_init` sets the class's own virtual
   * functions and its signals.
   */
  static GType get(
      GType parent, const char* name, void (*class_init)(Class*) = [](Class*) {}) noexcept {
    s_class_init = class_init;
    static const GType type =
        g_type_register_static_simple(parent, g_intern_string(name), sizeof(Class), init_class,
                                      sizeof(Instance), init_instance, GTypeFlags{});
    return type;
  }

 private:
  static void init_class(gpointer klass, gpointer /*data*/) noexcept {
    s_parent_class = static_cast<GObjectClass*>(g_type_class_peek_parent(klass));
    static_cast<GObjectClass*>(klass)->finalize = finalize;
    s_class_init(static_cast<Class*>(klass));
  }

  static void init_instance(GTypeInstance* instance, gpointer /*klass*/) noexcept {
    State& state = *reinterpret_cast<Instance*>(instance);
    std::construct_at(&state);
  }

  static void finalize(GObject* object) noexcept {
    State& state = *reinterpret_cast<Instance*>(object);
    std::destroy_at(&state);
    s_parent_class->finalize(object);
  }

  static inline GObjectClass* s_parent_class = nullptr;
  static inline void (*s_class_init)(Class*) = nullptr;
};

}  // namespace varnholt
