#!/usr/bin/perl
# Writes src/automation/case_folding.cpp from CaseFolding.txt of the Unicode Character Database:
#
# perl cmake/make_case_folding.pl /usr/share/unicode/CaseFolding.txt > src/automation/case_folding.cpp
#
# (Debian's package unicode-data has the file.) Takes the foldings of one code point to one, status
# C and S. Neighbours that fold alike share a row.
use strict;
use warnings;

my ($version, @rows);
while (my $line = <>) {
  $version = $1 if $line =~ /^# CaseFolding-([\d.]+)\.txt/;
  next unless $line =~ /^([0-9A-F]+); [CS]; ([0-9A-F]+);/;
  my ($from, $delta) = (hex $1, hex($2) - hex $1);
  my $row = $rows[-1];
  my $gap = $row ? $from - $row->{last} : 0;
  if ($row && $row->{delta} == $delta && $gap <= 2 && ($gap == $row->{step} || !$row->{step})) {
    $row->{last} = $from;
    $row->{step} = $gap;
  } else {
    push @rows, {first => $from, last => $from, step => 0, delta => $delta};
  }
}
die "no version line\n" unless $version;

print <<"END";
// Generated from Unicode $version; do not edit. To make it anew:
// perl cmake/make_case_folding.pl /usr/share/unicode/CaseFolding.txt > src/automation/case_folding.cpp
#include "automation/case_folding.h"

namespace vndoc6::automation {

// clang-format off
const CaseFoldingRow kCaseFolding[] = {
END
printf "    {0x%04X, 0x%04X, %d, %d},\n", $_->{first}, $_->{last}, $_->{step} || 1, $_->{delta}
    for @rows;
print <<"END";
};
// clang-format on
const size_t kCaseFoldingRows = sizeof kCaseFolding / sizeof *kCaseFolding;

}  // namespace vndoc6::automation
END
