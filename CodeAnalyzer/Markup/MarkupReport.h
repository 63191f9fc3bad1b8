#pragma once

#include "Diagnostics/MarkupReport.h"
