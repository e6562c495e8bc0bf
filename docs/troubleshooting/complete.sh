#!/usr/bin/env bash
# Passes if the page has every status and every text of an exception in the sources of the operations.
# usage: complete.sh sources page
set -euo pipefail
sources=$1 page=$2

# Statuses of entries that no exported operation raises, because the arguments that it passes are always valid: masks,
# borders, data types, channels, and steps of whole pixels. The last ones concern requests about the processor.
internal="ippStsNoErr ippStsBorderErr ippStsMaskSizeErr ippStsNumChannelsErr ippStsNotEvenStepErr
  ippStsFeatureNotSupported ippStsFeaturesCombination ippStsNonIntelCpu ippStsNotSupportedCpu
  ippStsUnknownCacheSize ippStsUnknownFeature"

missing=0
while read -r status; do
  [[ " $(echo $internal) " == *" $status "* ]] && continue
  grep -q "^    $status: " "$page" || { echo "$status is not on the page"; missing=1; }
done < <(grep -rhoE 'ippSts[A-Z][A-Za-z]+' "$sources"/{methods,operations,primitives} | sort -u)
while read -r text; do
  grep -qF "$text" "$page" || { echo "\"$text\" is not on the page"; missing=1; }
done < <(grep -rhoE 'TextException\((std::string\()?"[^"\\]*' "$sources" | sed 's/.*"//' | sort -u)
exit $missing
