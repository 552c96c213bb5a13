--TEST--
Module, constants, classes and the signature of every method
--SKIPIF--
<?php if (PHP_VERSION_ID < 80000) echo 'skip before PHP 8 methods of extensions have no types'; ?>
--FILE--
<?php
foreach (['SEPA', 'velmora'] as $name) {
    $module = new ReflectionExtension($name);
    echo $module->getName(), ' ', $module->getVersion(), "\n";
    echo json_encode([$module->getFunctions(), $module->getINIEntries(), $module->getDependencies()]), "\n";
    foreach ($module->getConstants() as $constant => $value) {
        echo "$constant = $value\n";
    }
    array_map('describe', $module->getClasses());
    echo "\n";
}

function describe(ReflectionClass $class): void
{
    $parent = $class->getParentClass();
    echo "\n", $class->isFinal() ? 'final ' : '', 'class ', $class->getName(),
        $parent ? ' extends ' . $parent->getName() : '', $class->isCloneable() ? ' (cloneable)' : '', "\n";
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
echo $information[1], "\n";
?>
--EXPECT_EXTERNAL--
module.txt
