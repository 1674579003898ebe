#!/usr/bin/env bash
# Options of the sanitizers for the programs of the checked build (sourced): every finding,
# leaks included, stops the program with a stack trace. lsan.supp lists the leaks of system
# libraries.
ORV_SCRIPTS="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export LSAN_OPTIONS="suppressions=$ORV_SCRIPTS/lsan.supp:print_suppressions=0"
