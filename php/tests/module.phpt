--TEST--
Module, constants, classes and the signature of every method
--FILE--
<?php
$module = new ReflectionExtension('SEPA');
echo $module->getName(), ' ', $module->getVersion(), "\n";
echo json_encode([$module->getFunctions(), $module->getINIEntries(), $module->getDependencies()]), "\n";
foreach ($module->getConstants() as $name => $value) {
    echo "$name = $value\n";
}
foreach ($module->getClasses() as $class) {
    $parent = $class->getParentClass();
    echo "\nclass ", $class->getName(), $parent ? ' extends ' . $parent->getName() : '',
        $class->isCloneable() ? ' (cloneable)' : '', "\n";
    foreach ($class->getMethods() as $method) {
        if ($method->getDeclaringClass() == $class) {
            $parameters = array_map(function ($parameter) {
                return trim($parameter->getType() . ' ' . ($parameter->isPassedByReference() ? '&' : '') . '$' .
                    $parameter->getName() . ($parameter->isOptional() ? '?' : ''));
            }, $method->getParameters());
            echo implode(' ', Reflection::getModifierNames($method->getModifiers())), ' ', $method->getName(), '(',
                implode(', ', $parameters), ")\n";
        }
    }
}

ob_start();
phpinfo(INFO_MODULES);
preg_match('/^SEPA\n\n(.*?)\n\n/ms', ob_get_clean(), $information);
echo "\n", $information[1], "\n";
?>
--EXPECT--
SEPA 2.30
[[],[],[]]
SEPA_DDTYPE_CORE = 0
SEPA_DDTYPE_COR1 = 1
SEPA_DDTYPE_B2B = 2
SEPA_MSGTYPE_DDI = 1
SEPA_MSGTYPE_CTI = 2
SEPA_INIT_RULEBOOK = 3
SEPA_SCL_SCT = 1
SEPA_SCL_SDD = 2
SEPA_SCL_COR1 = 4
SEPA_SCL_B2B = 8
SEPA_STMT_FORMAT_MT940 = 1

class SEPA
public __construct(int $type)
public setIBAN(string $iban)
public setBIC(string $bic)
public setName(string $name)
public setCreditorIdentifier(string $identifier)
public setDate(string $date)
public setDDType(int $type)
public setBatchBooking(bool $batch)
public setMessageId(string $id)
public add(array $transaction)
public toXML()
public static init(int $option, string $value)
public static IBAN_convert(string $country, string $account, string $bankCode, &$status?)
public static IBAN_getBIC(string $iban)
public static IBAN_check(string $iban)
public static BIC_getBankName(string $bic)
public static BIC_getBankFlags(string $bic)

class SEPAException extends Exception

class SEPAStatementParser
public __construct()
public load(int $format, string $filename)
public getStatements()

libvelmora => enabled
Version => 2.30
