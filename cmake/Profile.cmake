# Profile-guided building, in two goes over one build folder: a program built to `record` notes what it does, next to its
# object files; built again to `apply`, it is laid out for that.
set(CODE_ANALYZER_PROFILE "" CACHE STRING "Profile-guided building: record or apply")
if(CODE_ANALYZER_PROFILE STREQUAL record)
    add_compile_options(-fprofile-generate -fprofile-update=prefer-atomic)
    add_link_options(-fprofile-generate)
elseif(CODE_ANALYZER_PROFILE STREQUAL apply)
    # What a recording has not met is built as it always is, not as if it were never needed.
    add_compile_options(-fprofile-use -fprofile-partial-training -fprofile-correction -Wno-missing-profile
        -Wno-coverage-mismatch)
elseif(CODE_ANALYZER_PROFILE)
    message(FATAL_ERROR "CODE_ANALYZER_PROFILE is record, apply or nothing, not ${CODE_ANALYZER_PROFILE}")
endif()
