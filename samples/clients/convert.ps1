# Wandelt die Berichte eines Ordners um. Aufruf: powershell -File convert.ps1 DIFFERENZORDNER BERICHTSORDNER
# Die PowerShell muss so viele Bits haben wie die registrierte Tessary.dll.
param(
    [Parameter(Mandatory = $true)] [string] $Differenzordner,
    [Parameter(Mandatory = $true)] [string] $Berichtsordner
)
$ErrorActionPreference = 'Stop'

$manager = New-Object -ComObject Tessary.BXConvertLLMgr
$done = $manager.ConvertReports($Differenzordner, $Berichtsordner, '')

foreach ($entry in $manager.Errors) {
    Write-Output ('{0}: {1} ({2:X8})' -f $entry.Source, $entry.Text, $entry.Number)
}
Write-Output "$($manager.CountCorrectReports) Umwandlungen gelungen"
if ($done) { exit 0 }
Write-Output 'Nicht alle Umwandlungen sind gelungen.'
exit 1
