#pragma once

#include "Components/CAProjectHandler.h"
