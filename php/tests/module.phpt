--TEST--
Module, constants, classes and the signature of every method
--SKIPIF--
<?php if (PHP_VERSION_ID < 80000) echo 'skip before PHP 8 methods of extensions have no types'; ?>
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
--EXPECT_EXTERNAL--
module.txt
