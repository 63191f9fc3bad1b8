#pragma once

/// Marks the few symbols that leave the shared library; everything else is hidden.
#define KESH_EXPORT __attribute__((visibility("default")))
