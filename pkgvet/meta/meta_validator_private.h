// The record behind MetaValidator.
#pragma once

#include "pkgvet/meta/header_facts.h"
#include "pkgvet/report/findings.h"

struct MetaValidatorPrivate {
    pkgvet::HeaderFacts facts;
    pkgvet::Findings findings;
};
