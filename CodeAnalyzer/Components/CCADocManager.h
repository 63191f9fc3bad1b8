#pragma once

// The pipeline of document checks: which documents are checked, and the check of each.
#include "Components/CADocManager.h"
#include "Components/CADocParser.h"
#include "Components/CADocParserThread.h"
