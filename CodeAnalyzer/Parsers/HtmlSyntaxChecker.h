#pragma once

// The markup checkers have a room of their own; some ask for this one here.
#include "Markup/HtmlSyntaxChecker.h"
